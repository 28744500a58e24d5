#include <tarvos/core/Report.h>
#include <tarvos/core/parser/CmdLineParser.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace tarvos::core::parser {

namespace {

constexpr int EXIT_STATUS = -255;

/// A field of the usage table: padded with blanks on the right, never cut.
std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string yesNo(const std::string& value) {
    return value == "1" ? "true" : "false";
}

}  // namespace

CmdLineParser::CmdLineParser(int argc, char** argv) : mArgv(argv), mArgc(argc) {
    addFlag("help", "display a help message");
}

void CmdLineParser::addOption(std::string name, std::string description, std::string defaultValue, bool mandatory) {
    mOptions.push_back({std::move(name), std::move(description), defaultValue, defaultValue, false, mandatory});
}

void CmdLineParser::addFlag(std::string name, std::string description) {
    mFlags.push_back({std::move(name), std::move(description), "0", "0", false, false});
}

void CmdLineParser::parse() {
    for (int i = 0; i < mArgc; ++i) {
        const std::string word = mArgv[i];
        if (word.empty() || word.front() != '-')
            continue;
        const std::string name = word.substr(1);
        for (t_arg& flag : mFlags)
            if (flag.name == name) {
                flag.value = "1";
                flag.setOnCommandLine = true;
            }
        for (t_arg& option : mOptions) {
            if (option.name != name)
                continue;
            if (i + 1 >= mArgc) {
                report(std::cerr, "Warning: Option \"" + option.name + "\" requires an argument!! Value unchanged!!");
                std::exit(EXIT_STATUS);
            }
            option.value = mArgv[++i];
            option.setOnCommandLine = true;
        }
    }

    if (get<bool>("help")) {
        printUsage("");
        std::exit(EXIT_STATUS);
    }
    const auto missing = std::find_if(mOptions.begin(), mOptions.end(),
                                      [](const t_arg& option) { return option.mandatory && !option.setOnCommandLine; });
    if (missing != mOptions.end()) {
        report(std::cerr, "Warning: Option \"" + missing->name + "\" must be set!!");
        printUsage("");
        std::exit(EXIT_STATUS);
    }
}

std::vector<std::string> CmdLineParser::unknownWords() const {
    std::vector<std::string> words;
    for (int i = 0; i < mArgc; ++i) {
        const std::string word = mArgv[i];
        if (word.empty() || word.front() != '-')
            continue;
        if (find(word.substr(1)) == nullptr)
            words.push_back(word);
        i += static_cast<int>(std::count_if(mOptions.begin(), mOptions.end(), [&](const t_arg& option) {
            return option.name == word.substr(1);
        }));  // each takes a word
    }
    return words;
}

std::string CmdLineParser::getValue(std::string name) const {
    const t_arg* record = find(name);
    return record != nullptr ? record->value : "";
}

bool CmdLineParser::isSet(std::string name) const {
    const t_arg* record = find(name);
    return record != nullptr && record->setOnCommandLine;
}

void CmdLineParser::printUsage(std::string extra) const {
    std::ostringstream table;  // its own, so that std::cerr keeps its formatting
    if (!mAppDescription.empty())
        table << mAppDescription << '\n';
    table << "Command line options:\n";
    for (const char* title : {"Option", "Default", "Current", "Description"})
        table << padded(title, 20);
    table << '\n' << std::string(80, '-') << '\n';
    for (const t_arg& flag : mFlags)
        table << '-' << padded(flag.name, 16) << padded(flag.setOnCommandLine ? "(*)" : "", 3)
              << padded(yesNo(flag.defaultValue), 20) << padded(yesNo(flag.value), 20) << padded(flag.description, 20)
              << '\n';
    for (const t_arg& option : mOptions)
        table << '-' << padded(option.name, 13) << padded(option.mandatory ? "(+)" : "", 3)
              << padded(option.setOnCommandLine ? "(*)" : "", 3) << padded(option.defaultValue, 20)
              << padded(option.value, 20) << padded(option.description, 20) << '\n';
    table << "\n(+): mandatory argument\n(*): argument was set on commandline\n";
    if (!extra.empty())
        table << '\n' << extra;
    report(std::cerr, table.str());
}

const CmdLineParser::t_arg* CmdLineParser::find(const std::string& name) const {
    for (const auto* records : {&mFlags, &mOptions}) {
        const auto found =
            std::find_if(records->begin(), records->end(), [&](const t_arg& record) { return record.name == name; });
        if (found != records->end())
            return &*found;
    }
    return nullptr;
}

}  // namespace tarvos::core::parser

#include "core/parser/CmdLineParser.h"

#include "core/Report.h"

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <utility>

namespace tarvos::core::parser {

namespace {

/// One field of the usage table: left-aligned, padded with blanks, never cut.
struct Field {
    std::string text;
    int width;
};

std::ostream& operator<<(std::ostream& stream, const Field& field) {
    return stream << std::left << std::setw(field.width) << field.text;
}

const char* yesNo(const std::string& value) {
    return value == "1" ? "true" : "false";
}

const char* mark(bool shown, const char* text) {
    return shown ? text : "";
}

[[noreturn]] void endProcess() {
    std::exit(-255);
}

}  // namespace

CmdLineParser::CmdLineParser(int argc, char** argv) : mArgv(argv), mArgc(argc) {
    addFlag("help", "display a help message");
}

void CmdLineParser::setAppDescription(std::string description) {
    mAppDescription = std::move(description);
}

void CmdLineParser::addOption(std::string name, std::string description, std::string defaultValue, bool mandatory) {
    mOptions.push_back({std::move(name), std::move(description), defaultValue, defaultValue, false, mandatory});
}

void CmdLineParser::addFlag(std::string name, std::string description) {
    mFlags.push_back({std::move(name), std::move(description), "0", "0", false, false});
}

void CmdLineParser::parse() {
    mUnknownWords.clear();
    for (int i = 0; i < mArgc; ++i) {
        const std::string word = mArgv[i];
        if (word.empty() || word.front() != '-')
            continue;
        const std::string name = word.substr(1);
        if (find(name) == nullptr)
            mUnknownWords.push_back(word);
        for (t_arg& flag : mFlags) {
            if (flag.name == name) {
                flag.value = "1";
                flag.setOnCommandLine = true;
            }
        }
        for (t_arg& option : mOptions) {
            if (option.name != name)
                continue;
            if (i + 1 >= mArgc) {
                report(std::cerr, "Warning: Option \"" + option.name + "\" requires an argument!! Value unchanged!!\n");
                endProcess();
            }
            option.value = mArgv[++i];
            option.setOnCommandLine = true;
        }
    }

    if (get<bool>("help")) {
        printUsage("");
        endProcess();
    }
    const auto missing = std::find_if(mOptions.begin(), mOptions.end(),
                                      [](const t_arg& option) { return option.mandatory && !option.setOnCommandLine; });
    if (missing != mOptions.end()) {
        report(std::cerr, "Warning: Option \"" + missing->name + "\" must be set!!\n");
        printUsage("");
        endProcess();
    }
}

std::string CmdLineParser::getValue(std::string name) const {
    const t_arg* record = find(name);
    return record != nullptr ? record->value : "";
}

bool CmdLineParser::getValueBool(std::string name) const {
    return getValue(std::move(name)) == "1";
}

int CmdLineParser::getValueInt(std::string name) const {
    return get<int>(std::move(name));
}

double CmdLineParser::getValueDouble(std::string name) const {
    return get<double>(std::move(name));
}

bool CmdLineParser::isSet(std::string name) const {
    const t_arg* record = find(name);
    return record != nullptr && record->setOnCommandLine;
}

const std::vector<std::string>& CmdLineParser::unknownWords() const {
    return mUnknownWords;
}

void CmdLineParser::printUsage(std::string extra) const {
    // Built in a stream of its own, so that std::cerr keeps its formatting.
    std::ostringstream table;
    if (!mAppDescription.empty())
        table << mAppDescription << '\n';
    table << "Command line options:\n";
    table << Field{"Option", 20} << Field{"Default", 20} << Field{"Current", 20} << Field{"Description", 20} << '\n';
    table << std::string(80, '-') << '\n';
    for (const t_arg& flag : mFlags) {
        table << '-' << Field{flag.name, 16} << Field{mark(flag.setOnCommandLine, "(*)"), 3}
              << Field{yesNo(flag.defaultValue), 20} << Field{yesNo(flag.value), 20} << Field{flag.description, 20}
              << '\n';
    }
    for (const t_arg& option : mOptions) {
        table << '-' << Field{option.name, 13} << Field{mark(option.mandatory, "(+)"), 3}
              << Field{mark(option.setOnCommandLine, "(*)"), 3} << Field{option.defaultValue, 20}
              << Field{option.value, 20} << Field{option.description, 20} << '\n';
    }
    table << "\n(+): mandatory argument\n(*): argument was set on commandline\n\n";
    if (!extra.empty())
        table << extra << '\n';
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

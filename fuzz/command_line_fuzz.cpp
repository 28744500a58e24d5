/// @file
/// Command lines, beside a model of how they are scanned.

#include "Input.h"
#include "core/parser/CmdLineParser.h"

#include <map>
#include <set>
#include <string>
#include <vector>

using tarvos::core::parser::CmdLineParser;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::string NAMES[] = {"a", "b", "c", "", "-a", "a=1"};
    static const std::string WORDS[] = {"-a", "-b", "-c", "-", "--a", "-a=1", "a", "", "1", "12 x", "-7", "-help?"};
    Input input(bytes, size);
    std::set<std::string> flags{"help"};
    std::map<std::string, std::string> options;
    for (const std::string& name : NAMES) {
        const int kind = input.below(3);
        if (kind == 1)
            flags.insert(name);
        else if (kind == 2)
            options[name] = std::to_string(input.byte());
    }
    std::vector<std::string> words;
    while (!input.isOver())
        words.push_back(WORDS[input.below(12)]);
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    CmdLineParser parser(static_cast<int>(arguments.size()), arguments.data());
    for (const std::string& name : flags)
        if (name != "help")
            parser.addFlag(name, "");
    for (const auto& [name, value] : options)
        parser.addOption(name, "", value, false);

    std::set<std::string> seen;
    std::vector<std::string> unknown;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].rfind('-', 0) != 0)
            continue;
        const std::string name = words[i].substr(1);
        if (flags.count(name) + options.count(name) == 0) {
            unknown.push_back(words[i]);
            continue;
        }
        seen.insert(name);
        if (options.count(name) == 0)
            continue;
        if (i + 1 == words.size())
            return 0;  // which ends the process
        options[name] = words[++i];
    }
    parser.parse();
    parser.parse();  // which changes nothing
    FUZZ_CHECK(parser.unknownWords() == unknown);
    for (const std::string& name : NAMES) {
        FUZZ_CHECK(parser.isSet(name) == (seen.count(name) > 0));
        const std::string value = flags.count(name) > 0     ? std::to_string(seen.count(name))
                                  : options.count(name) > 0 ? options[name]
                                                            : "";
        FUZZ_CHECK(parser.getValue(name) == value);
        FUZZ_CHECK(parser.getValueBool(name) == (value == "1"));
        FUZZ_CHECK(parser.getValueInt(name) == std::atoi(value.c_str()));
    }
    return 0;
}

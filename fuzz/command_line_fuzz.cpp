/// @file
/// Command lines, beside a model of how they are scanned.

#include "Input.h"

#include <tarvos/core/parser/CmdLineParser.h>

#include <map>
#include <string>
#include <vector>

namespace {

const std::string NAMES[] = {"a", "b", "c", "", "-a", "a=1"};
const std::string WORDS[] = {"-a", "-b", "-c", "-", "--a", "-a=1", "a", "", "1", "12 x", "-7", "-help?"};

struct Record {
    bool isFlag = false, isSet = false;
    std::string value;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    std::vector<std::string> words(input.byte() % 16U);
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back((word = WORDS[input.below(12)]).data());
        Input::note("word ", word);
    }
    tarvos::core::parser::CmdLineParser parser(static_cast<int>(arguments.size()), arguments.data());
    std::map<std::string, Record> known;
    for (const std::string& name : NAMES) {
        const int kind = input.below(3);
        if (kind == 1)
            parser.addFlag(name, "");
        else if (kind == 2)
            parser.addOption(name, "", "7", false);
        Input::note(name, kind == 0 ? " is unknown" : kind == 1 ? " is a flag" : " is an option");
        if (kind > 0)
            known[name] = {kind == 1, false, kind == 1 ? "0" : "7"};
    }
    std::vector<std::string> unknown;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].rfind('-', 0) != 0)
            continue;
        const auto record = known.find(words[i].substr(1));
        if (record == known.end())
            unknown.push_back(words[i]);
        else if (record->second.isFlag)
            record->second = {true, true, "1"};
        else if (i + 1 < words.size())
            record->second = {false, true, words[++i]};
        else
            return 0;  // which exits
    }
    parser.parse();
    parser.parse();  // which changes nothing
    FUZZ_CHECK(parser.unknownWords() == unknown);
    for (const std::string& name : NAMES) {
        const Record& record = known[name];
        FUZZ_CHECK(parser.isSet(name) == record.isSet);
        FUZZ_CHECK(parser.getValue(name) == record.value);
        FUZZ_CHECK(parser.getValueBool(name) == (record.value == "1"));
        FUZZ_CHECK(parser.getValueInt(name) == std::atoi(record.value.c_str()));
    }
    return 0;
}

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

/// What is registered under a name, and read.
struct Record {
    bool isFlag = false, isSet = false;
    int options = 0;
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
        const bool isFlag = input.below(2) == 1;
        const int options = input.below(3);
        if (isFlag)
            parser.addFlag(name, "");
        for (int i = 0; i < options; ++i)
            parser.addOption(name, "", "7", false);
        Input::note(name, isFlag ? " is a flag and " : " is ", options, " options");
        if (isFlag || options > 0)
            known[name] = {isFlag, false, options, isFlag ? "0" : "7"};
    }
    std::vector<std::string> unknown;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].rfind('-', 0) != 0)
            continue;
        const auto found = known.find(words[i].substr(1));
        if (found == known.end()) {
            unknown.push_back(words[i]);
            continue;
        }
        Record& record = found->second;
        if (i + static_cast<std::size_t>(record.options) >= words.size())
            return 0;  // which exits
        record.value = record.isFlag ? "1" : words[i + 1];
        record.isSet = true;
        i += static_cast<std::size_t>(record.options);  // each takes a word, the first is read
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

#pragma once

#include "../Export.h"

#include <locale>
#include <sstream>
#include <string>
#include <vector>

namespace tarvos::core::parser {

/// A small command-line front end: words beginning with one "-" name flags, which are on or off, and options, which
/// take the next word as their value.
///
/// @snippet services.cpp parser
///
/// The flag "help" is always there. Words that name nothing are ignored; unknownWords() has those that began with "-".
/// A name registered twice makes two records: parse() serves both, the readers find the first, flags before options.
/// @ingroup utilities
class TARVOS_CORE_EXPORT CmdLineParser {
public:
    /// One flag or option.
    struct t_arg {
        std::string name;          ///< as written after the "-"
        std::string description;   ///< for the usage table
        std::string value;         ///< of a flag "0" or, once seen, "1"
        std::string defaultValue;  ///< as registered; "0" for a flag
        bool setOnCommandLine;     ///< whether parse() has seen the name
        bool mandatory;            ///< options only
    };

    /// Takes what `main` got. The arguments are not copied: keep them until parse() has run.
    CmdLineParser(int argc, char** argv);

    /// The first line of the usage table.
    void setAppDescription(std::string description);
    /// Registers an option. parse() ends the process when a @p mandatory one is not given.
    void addOption(std::string name, std::string description, std::string defaultValue, bool mandatory);
    /// Registers a flag.
    void addFlag(std::string name, std::string description);

    /// Reads the command line. Ends the process with `exit(-255)` (status 1) after a warning when an option lacks its
    /// value, after the usage table when help is asked for, and after both when a mandatory option is missing.
    void parse();

    /// The value as text; the default before parse(), empty for an unknown name.
    std::string getValue(std::string name) const;
    /// Whether the value is exactly "1".
    bool getValueBool(std::string name) const;
    /// The value as a whole number; see get().
    int getValueInt(std::string name) const;
    /// The value as a number; see get().
    double getValueDouble(std::string name) const;
    /// The value as formatted extraction from a stream reads it, in the classic locale: leading blanks are skipped
    /// and what follows the value is ignored ("12abc" gives 12). Text that is no T gives what extraction leaves, 0
    /// for a number; use getValue() where bad input must be told from 0.
    template <typename T>
    T get(std::string name) const;
    /// Whether the name was given on the command line.
    bool isSet(std::string name) const;

    /// The words, in order, that began with "-" when parse() ran and named neither a flag nor an option, for an
    /// application that wants to reject them.
    const std::vector<std::string>& unknownWords() const;

    /// Writes the usage table to standard error, then @p extra on a line of its own unless it is empty.
    void printUsage(std::string extra) const;

private:
    std::vector<t_arg> mFlags;
    std::vector<t_arg> mOptions;
    char** mArgv;
    int mArgc;
    std::string mAppDescription;
    std::vector<std::string> mUnknownWords;

    const t_arg* find(const std::string& name) const;
};

template <typename T>
T CmdLineParser::get(std::string name) const {
    T value{};
    std::istringstream text(getValue(name));
    text.imbue(std::locale::classic());
    text >> value;
    return value;
}

}  // namespace tarvos::core::parser

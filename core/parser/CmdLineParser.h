#pragma once

#include <tarvos/core/Export.h>

#include <istream>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarvos::core::parser {

/// A small command-line front end: words beginning with one "-" name flags, which are on or off, and options, which
/// take the next word as their value.
///
/// @snippet services.cpp parser
///
/// The flag "help" is always registered. Words that match no name are ignored; unknownWords() has those that began with
/// "-". An option takes its next word whatever it is, also one with a "-"; if it is given twice, the last one counts.
/// If a name is registered several times, parse() sets all of them, each option taking one more word; the first flag,
/// or else the first option, is read.
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

    /// Takes main's argc and argv. The arguments are not copied: keep them.
    CmdLineParser(int argc, char** argv);

    /// The first line of the usage table.
    void setAppDescription(std::string description) { mAppDescription = std::move(description); }
    /// Registers an option. parse() exits when a @p mandatory one is not given.
    void addOption(std::string name, std::string description, std::string defaultValue, bool mandatory);
    /// Registers a flag.
    void addFlag(std::string name, std::string description);

    /// Reads the command line. Exits with `exit(-255)` (status 1) after a warning if an option lacks its
    /// value, after the usage table if help is requested, and after both if a mandatory option is missing.
    void parse();

    /// The value as text; the default before parse(), empty for an unknown name.
    std::string getValue(std::string name) const;
    /// Whether the value is exactly "1".
    bool getValueBool(std::string name) const { return getValue(name) == "1"; }
    /// The value as a whole number; see get().
    int getValueInt(std::string name) const { return get<int>(name); }
    /// The value as a number; see get().
    double getValueDouble(std::string name) const { return get<double>(name); }
    /// The value as formatted extraction from a stream reads it, in the classic locale: leading blanks are skipped
    /// and what follows the value is ignored ("12abc" gives 12). For an `int` or a
    /// `double`, text that is not a number gives 0 and a number out of range the nearest limit; value() detects both.
    template <typename T>
    T get(std::string name) const;
    /// The value if its whole text is a T, for instance `parser.value<int>("frames")`; nullopt otherwise, e.g. for an
    /// `int` with "12abc", " 12", "99999999999", "" or an unknown name. A `bool` is "1" or "0", a string any text.
    template <typename T>
    std::optional<T> value(std::string name) const;
    /// Whether the name was given on the command line.
    bool isSet(std::string name) const;

    /// The words, in order, that begin with "-" but match neither a flag nor an option, for applications that reject
    /// them. Call it before parse(), which exits when a mandatory option is missing, without naming a mistyped one.
    std::vector<std::string> unknownWords() const;

    /// Writes the usage table to standard error, then @p extra on a line of its own unless it is empty.
    void printUsage(std::string extra) const;

private:
    std::vector<t_arg> mFlags;
    std::vector<t_arg> mOptions;
    char** mArgv;
    int mArgc;
    std::string mAppDescription;
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

template <typename T>
std::optional<T> CmdLineParser::value(std::string name) const {
    const std::string whole = getValue(name);
    if constexpr (std::is_same_v<T, std::string>)
        return whole;
    if constexpr (std::is_same_v<T, bool>)
        return whole == "1" || whole == "0" ? std::optional<T>(whole == "1") : std::nullopt;
    if (std::is_unsigned_v<T> && sizeof(T) > 1 && whole.find('-') != std::string::npos)
        return std::nullopt;  // extraction would wrap it around
    std::istringstream text(whole);
    text.imbue(std::locale::classic());
    T value{};
    if (text >> std::noskipws >> value && text.peek() == std::istringstream::traits_type::eof())
        return value;
    return std::nullopt;
}

}  // namespace tarvos::core::parser

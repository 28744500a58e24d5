#pragma once

#include <string>
#include <vector>

namespace skin_tracker {

/// The files that a run writes. They are made in a directory of their own and moved to the output directory once all of
/// them are complete; a run that fails leaves the output directory as it was.
class Results {
public:
    /// For files that may be called @p names in the directory @p path, which is created if it is missing. Throws
    /// `std::runtime_error` if that fails, the directory cannot be written to, or something that cannot be replaced has
    /// one of the names.
    Results(const std::string& path, std::vector<std::string> names);
    ~Results();
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Announces the file @p name. Returns where to write it.
    std::string partOf(const std::string& name);
    /// Moves the files that were written to their names, and removes files of the other names, which an earlier run
    /// made. Returns the paths. Throws `std::runtime_error`, before it moves any, if a name cannot be replaced.
    std::vector<std::string> publish();

private:
    std::string mPath;
    std::vector<std::string> mPossible;
    std::string mWork;  ///< the directory in which the files are made
    bool mCreated = false;
    std::vector<std::string> mNames;

    void requireReplaceable() const;
    void cleanUp();
};

}  // namespace skin_tracker

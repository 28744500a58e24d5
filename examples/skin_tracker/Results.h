#pragma once

#include <string>
#include <vector>

namespace skin_tracker {

/// The files that a run writes. They are made in a directory of their own and moved to the output directory once all of
/// them are complete; a run that fails leaves the output directory unchanged.
class Results {
public:
    /// Creates the directory @p path if it is missing. Throws `std::runtime_error` if that fails or the directory
    /// cannot be written to.
    explicit Results(const std::string& path);
    ~Results();
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Where to write the file that will be @p name.
    std::string partOf(const std::string& name);
    /// Gives all files their names, and removes those of @p possible that an earlier run made and this one did not.
    /// Returns their paths. Throws `std::runtime_error` if a directory has one of the names, and then publishes none.
    std::vector<std::string> publish(const std::vector<std::string>& possible);

private:
    std::string mPath;
    std::string mWork;  ///< the directory in which the files are made
    bool mCreated = false;
    std::vector<std::string> mNames;
};

}  // namespace skin_tracker

#pragma once

#include <string>
#include <vector>

namespace skin_tracker {

/// The files that a run writes. They are made in a directory of their own and appear in the output directory together,
/// once all of them are complete and can be moved there; of a run that fails nothing is left, and the output directory
/// is as it was.
class Results {
public:
    /// Creates the directory @p path when it is missing. Throws `std::runtime_error` when that cannot be done or the
    /// directory cannot be written to.
    explicit Results(const std::string& path);
    ~Results();
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Where to write the file that will be @p name.
    std::string partOf(const std::string& name);
    /// Writes a file whole. Throws `std::runtime_error` when that cannot be done.
    void write(const std::string& name, const std::string& text);

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

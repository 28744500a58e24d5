#pragma once

#include "core/cvdata/Image.h"

#include <string>
#include <vector>

namespace skin_tracker {

/// The files a run writes. They appear in the output directory together, once all of them are complete; of a run that
/// fails nothing is left.
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
    void write(const std::string& name, const tarvos::core::cvdata::Image& image);

    /// Gives all files their names. Throws `tarvos::core::Exception` when that cannot be done.
    void publish();

private:
    std::string mPath;
    bool mCreated = false;
    std::vector<std::string> mNames;

    std::string partPath(const std::string& name) const;
};

}  // namespace skin_tracker

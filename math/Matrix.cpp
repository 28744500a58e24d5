#include <tarvos/math/EigenMap.h>
#include <tarvos/math/Matrix.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tarvos::math {

Matrix::Matrix(unsigned int rows, unsigned int cols) : mRows(rows), mCols(cols) {
    const std::uint64_t count = std::uint64_t{rows} * cols;  // which may exceed a size_t of 32 bits
    if (count > std::min<std::uint64_t>(std::numeric_limits<unsigned int>::max(), mOutside.max_size()))
        throw std::bad_array_new_length();
    if (count > mInside.size())
        mOutside.resize(static_cast<std::size_t>(count));
}

void Matrix::fill(double value) {
    if (value == 0.0 && !std::signbit(value))
        eigenMap(*this).setZero();  // twice as fast in large histograms
    else
        eigenMap(*this).setConstant(value);
}

void Matrix::throwOutOfRange(unsigned int row, unsigned int col) const {
    throw std::out_of_range("no element (" + std::to_string(row) + ", " + std::to_string(col) + ") in a " +
                            std::to_string(mRows) + "x" + std::to_string(mCols) + " matrix");
}

std::ostream& operator<<(std::ostream& stream, const Matrix& matrix) {
    std::streamsize width = stream.width(0);
    const bool isColumn = matrix.cols() == 1;
    if (width == 0 && !isColumn) {  // columns are aligned
        for (const double element : matrix) {
            std::ostringstream text;
            text.copyfmt(stream);
            text << element;
            width = std::max(width, static_cast<std::streamsize>(text.str().size()));
        }
    }
    stream << '[';
    for (std::size_t i = 0; i < matrix.dimension(); ++i) {
        if (i > 0)
            stream << (isColumn || i % matrix.cols() != 0 ? ", " : "]\n[");
        stream << std::setw(static_cast<int>(width)) << matrix.data()[i];
    }
    return stream << ']';
}

}  // namespace tarvos::math

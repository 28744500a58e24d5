/// @file
/// Vectors and matrices; shows pieces of the reference.

#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>

#include <iostream>

using tarvos::math::Matrix;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

int main() {
    //! [matrix]
    Matrix matrix(2, 3);
    matrix(1, 2) = 4.0;
    eigenMap(matrix) *= 2.0;             // with math/EigenMap.h, which needs Eigen
    std::cout << matrix << std::endl;    // [0, 0, 0] and [0, 0, 8] on two lines
    for (const double element : matrix)  // row by row
        std::cout << element << ' ';
    //! [matrix]

    //! [vector]
    Vector position = Vector::of(12.5, 7);
    position[1] += 0.5;  // not checked
    eigenMap(position) += eigenMap(Vector::of(1, 1));
    std::cout << position << std::endl;  // [13.5, 8.5]
    //! [vector]

    SquareMatrix covariance(2);
    eigenMap(covariance) << 4, 1, 1, 3;
    //! [inverse]
    const SquareMatrix inverse = covariance.invert(Matrix::INVERSION_LU);
    //! [inverse]
    return (eigenMap(covariance) * eigenMap(inverse)).isIdentity() && position[0] == 13.5 ? 0 : 1;
}

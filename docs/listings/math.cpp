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
    eigenMap(matrix) *= 2.0;             // with math/EigenMap.h, for which Eigen must be there
    std::cout << matrix << std::endl;    // [0, 0, 0] and [0, 0, 8] on two lines
    for (const double element : matrix)  // row by row
        std::cout << element << ' ';
    //! [matrix]

    //! [vector]
    Vector place = Vector::of(12.5, 7);
    place[1] += 0.5;  // not checked
    eigenMap(place) += eigenMap(Vector::of(1, 1));
    std::cout << place << std::endl;  // [13.5, 8.5]
    //! [vector]

    SquareMatrix covariance(2);
    eigenMap(covariance) << 4, 1, 1, 3;
    //! [inverse]
    const SquareMatrix inverse = covariance.invert(Matrix::INVERSION_LU);
    //! [inverse]
    return (eigenMap(covariance) * eigenMap(inverse)).isIdentity() && place[0] == 13.5 ? 0 : 1;
}

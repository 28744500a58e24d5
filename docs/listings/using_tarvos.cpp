#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>

#include <iostream>

int main() {
    tarvos::math::SquareMatrix matrix(2);
    eigenMap(matrix).setIdentity();  // Eigen's algorithms on the library's matrices
    std::cout << matrix << std::endl;
}

# What single tests need beyond the common libraries.

# BigNumberReference_test calculates again with GMP.
find_path(GMPXX_INCLUDE_DIR gmpxx.h REQUIRED)
find_library(GMP_LIBRARY gmp REQUIRED)
find_library(GMPXX_LIBRARY gmpxx REQUIRED)
mark_as_advanced(GMPXX_INCLUDE_DIR GMP_LIBRARY GMPXX_LIBRARY)
target_include_directories(BigNumberReference_test SYSTEM PRIVATE "${GMPXX_INCLUDE_DIR}")
target_link_libraries(BigNumberReference_test PRIVATE "${GMPXX_LIBRARY}" "${GMP_LIBRARY}")

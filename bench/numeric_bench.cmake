# The plain loops at -O2, and the peers, each compiled in when it is found, at -O3 for the machine that builds. (g++ 12 takes the
# undefined lanes of its own AVX-512 intrinsics for uninitialized variables.)
target_sources(numeric_bench PRIVATE numeric_loops.cpp numeric_peers.cpp)
set_source_files_properties(numeric_loops.cpp PROPERTIES COMPILE_OPTIONS -O2)
set_source_files_properties(numeric_peers.cpp PROPERTIES COMPILE_OPTIONS "-O3;-march=native;-ffp-contract=fast;-Wno-maybe-uninitialized")

find_package(Eigen3 QUIET NO_MODULE)
if(TARGET Eigen3::Eigen)
  zp_add_peer(numeric_bench ZP_HAVE_EIGEN SOURCE numeric_peers.cpp LIBRARIES Eigen3::Eigen)
else()
  message(STATUS "numeric_bench: no Eigen, that peer is left out")
endif()

find_path(ZP_OPENBLAS_HEADER cblas.h PATH_SUFFIXES openblas openblas-pthread)
find_library(ZP_OPENBLAS_LIBRARY openblas)
if(ZP_OPENBLAS_HEADER AND ZP_OPENBLAS_LIBRARY)
  zp_add_peer(numeric_bench ZP_HAVE_OPENBLAS SOURCE numeric_peers.cpp HEADERS ${ZP_OPENBLAS_HEADER}
              LIBRARIES ${ZP_OPENBLAS_LIBRARY})
else()
  message(STATUS "numeric_bench: no OpenBLAS, that peer is left out")
endif()

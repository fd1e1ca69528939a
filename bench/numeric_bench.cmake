#The plain loops at - O2, and the peers, each compiled in when it is found, at - O3 for the machine that builds.
target_sources(numeric_bench PRIVATE numeric_loops.cpp numeric_peers.cpp)
    set_source_files_properties(numeric_loops.cpp PROPERTIES COMPILE_OPTIONS - O2)
        set_source_files_properties(numeric_peers.cpp PROPERTIES COMPILE_OPTIONS "-O3;-march=native;-ffp-contract=fast")

            find_package(Eigen3 QUIET NO_MODULE) if (TARGET Eigen3::Eigen)
                target_compile_definitions(numeric_bench PRIVATE ZP_HAVE_EIGEN)
                    target_link_libraries(numeric_bench PRIVATE Eigen3::Eigen) else()
                        message(STATUS "numeric_bench: no Eigen, that peer is left out") endif()

                            find_path(ZP_OPENBLAS_HEADER cblas.h PATH_SUFFIXES openblas openblas - pthread)
                                find_library(ZP_OPENBLAS_LIBRARY openblas) if (ZP_OPENBLAS_HEADER AND ZP_OPENBLAS_LIBRARY)
                                    target_compile_definitions(numeric_bench PRIVATE ZP_HAVE_OPENBLAS)
                                        target_include_directories(numeric_bench SYSTEM PRIVATE ${ZP_OPENBLAS_HEADER})
                                            target_link_libraries(numeric_bench PRIVATE ${ZP_OPENBLAS_LIBRARY}) else()
                                                message(STATUS "numeric_bench: no OpenBLAS, that peer is left out") endif()

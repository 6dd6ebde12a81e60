# The program's crypto object, on libgcrypt (package libgcrypt20-dev), apart from the program so that tests can link it.
find_package(PkgConfig REQUIRED)
pkg_check_modules(libgcrypt REQUIRED IMPORTED_TARGET libgcrypt>=1.10)

add_library(pkider_crypto STATIC gcrypt_handle.cpp gost_pbe.cpp iteration_count.cpp key_derivation.cpp utf8.cpp utf16.cpp)
target_link_libraries(pkider_crypto PUBLIC PkgConfig::libgcrypt PRIVATE pkider_warnings)
target_include_directories(pkider_crypto PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

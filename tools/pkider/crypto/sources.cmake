set(tool_crypto_sources
  gcrypt_handle.cpp
  gost_pbe.cpp
  iteration_count.cpp
  iteration_limit.cpp
  key_derivation.cpp)

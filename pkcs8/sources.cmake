set(pkcs8_sources private_key_info.cpp gost_key.cpp encrypted_gost_key.cpp)
set(pkcs8_hot_sources encrypted_gost_key.cpp gost_key.cpp)

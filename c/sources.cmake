set(c_sources alg.cpp der.cpp dn.cpp host_crypto.cpp mirrored_values.cpp oid.cpp output.cpp pkcs12.cpp pkcs8.cpp status.cpp
              wiping.cpp)

set(alg_sources digest_info.cpp display_names.cpp dsa_signature.cpp ike_signalg.cpp lookups.cpp oid_printing.cpp pss_params.cpp public_key.cpp)

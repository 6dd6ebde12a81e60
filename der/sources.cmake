set(der_sources asn_block.cpp element_reader.cpp uint32_content.cpp)

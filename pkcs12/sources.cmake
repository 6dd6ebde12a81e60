set(pkcs12_sources attributes_reader.cpp mac_data.cpp reader.cpp safe_contents_reader.cpp safe_contents_writer.cpp writer.cpp)
set(pkcs12_hot_sources safe_contents_writer.cpp)

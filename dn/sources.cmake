set(dn_sources
    contain_attrs.cpp
    dn_decoder.cpp
    dn_encoder.cpp
    front_sink.cpp
    get_attr.cpp
    normalize.cpp
    printable_dn.cpp
    rdn_printer.cpp
    reverse.cpp
    teletex.cpp
    teletex_tables.cpp
    text_sink.cpp
    value_decoder.cpp
    value_escape.cpp)
set(dn_hot_sources dn_decoder.cpp)

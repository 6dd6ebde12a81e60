"""What the scripts have in common that ask OpenSSL for a second opinion."""

# Configuration in which the GOST engine is there, and requests take their names from the command line.
GOST_ENGINE = """
openssl_conf = openssl_init
[openssl_init]
engines = engines
[engines]
gost = gost_engine
[gost_engine]
engine_id = gost
default_algorithms = ALL
[req]
distinguished_name = empty
[empty]
"""


def dotted(contents):
    """The dotted text of an OID's contents, arcs of any size."""
    arcs, value = [], 0
    for byte in contents:
        value = value << 7 | byte & 0x7F
        if byte < 0x80:
            arcs.append(value)
            value = 0
    first = min(arcs[0] // 40, 2)
    return ".".join(map(str, [first, arcs[0] - 40 * first] + arcs[1:]))

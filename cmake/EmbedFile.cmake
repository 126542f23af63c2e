# Turns INPUT into a C++ source defining SYMBOL (bytes) and SYMBOL_size.
file(READ ${INPUT} hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(LENGTH "${hex}" hex_length)
math(EXPR size "${hex_length} / 2")
file(WRITE ${OUTPUT} "#include <cstddef>\nextern const unsigned char ${SYMBOL}[] = {${bytes}};\nextern const std::size_t ${SYMBOL}_size = ${size};\n")

# Writes a C++ source with the bytes of a file: INPUT, OUTPUT, NAME of the std::string_view, HEADER
# that declares it.
file(READ "${INPUT}" bytes HEX)
# A line of the source for each line of the text.
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REPLACE "0x0a," "0x0a,\n" bytes "${bytes}")
file(WRITE "${OUTPUT}" "#include \"${HEADER}\"

static constexpr unsigned char bytes[] = {
${bytes}
};

const std::string_view ${NAME}(reinterpret_cast<const char*>(bytes), sizeof bytes);
")

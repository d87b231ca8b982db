orn_unit(text/AutoLocale)
orn_unit(text/CharacterClass)
orn_unit(text/CharacterTable)
orn_unit(text/CodePoint)
orn_unit(text/CSVParser)
orn_unit(text/CSVReader)
orn_unit(text/Encoding)
orn_unit(text/Numbers)
orn_unit(text/Printf)
orn_unit(text/RawFile)
orn_unit(text/Strings)
orn_unit(text/TextEncoding)
orn_unit(text/TextLineIterator)
orn_unit(text/TextReader)
orn_unit(text/TextWriter)

# The table is told against the file it was made from.
set_source_files_properties(text/CharacterTableTest.cpp PROPERTIES
  COMPILE_DEFINITIONS "ORN_CATEGORIES=\"${PROJECT_SOURCE_DIR}/tools/data/general-category-5.0.0.txt\"")

# Writes a C++ source that holds the files of a folder: cmake -DFOLDER=... -DOUTPUT=... -P EmbedFolder.cmake
file(GLOB_RECURSE names RELATIVE "${FOLDER}" "${FOLDER}/*")
list(SORT names)
set(entries "")
foreach(name IN LISTS names)
    file(READ "${FOLDER}/${name}" text)
    string(APPEND entries "    {\"${name}\", R\"~~~~(${text})~~~~\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"desk/commands/DemoFiles.h\"\n\nnamespace desk {\n\n"
    "const std::vector<CDemoFile>& demoFiles() {\n    static const std::vector<CDemoFile> files = {\n${entries}    };\n"
    "    return files;\n}\n\n} // namespace desk\n")

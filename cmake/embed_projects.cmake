# Writes SOURCE, which gives `projectFiles()` of tool/project_files.h: the files below PROJECTS, and those of
# LIBRARY as Libraries/novel of the kind "novel".
set(arrays "")
set(rows "")
set(count 0)
function(embed file path)
    file(READ ${file} hex HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
    math(EXPR next "${count} + 1")
    set(count ${next} PARENT_SCOPE)
    string(APPEND arrays "constexpr unsigned char file${count}[] = {${bytes}};\n")
    string(APPEND rows "    {\"${path}\", file${count}},\n")
    set(arrays "${arrays}" PARENT_SCOPE)
    set(rows "${rows}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE files RELATIVE ${PROJECTS} ${PROJECTS}/*)
foreach(file IN LISTS files)
    embed(${PROJECTS}/${file} ${file})
endforeach()
file(GLOB_RECURSE files RELATIVE ${LIBRARY} ${LIBRARY}/*)
foreach(file IN LISTS files)
    embed(${LIBRARY}/${file} novel/Libraries/novel/${file})
endforeach()
file(WRITE ${SOURCE} "#include \"tool/project_files.h\"

namespace kelmora {
namespace {

${arrays}
constexpr ProjectFile files[] = {
${rows}};

}  // namespace

std::span<const ProjectFile> projectFiles() { return files; }

}  // namespace kelmora
")

# Makes one page of the help:
#
#   cmake -DCMARK=... -DFOLDER=... -DSOURCE=log-file.md -DTARGET=.../2.html -DPAGES="general:1;log-file:2;..."
#         -P HelpPage.cmake
#
# FOLDER has the Markdown, PAGES the name of each page in it and as HTML. Links between the pages follow.

execute_process(
  COMMAND ${CMARK} --extension table --validate-utf8 ${FOLDER}/${SOURCE}
  OUTPUT_VARIABLE body
  COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCH "<h1>([^<]*)</h1>" heading "${body}")
if(NOT heading)
  message(FATAL_ERROR "${SOURCE} does not begin with a heading")
endif()
set(title "${CMAKE_MATCH_1}")

set(navigation "")
foreach(page IN LISTS PAGES)
  string(REGEX REPLACE ":.*" ".md" source ${page})
  string(REGEX REPLACE ".*:" "" target ${page})
  file(STRINGS ${FOLDER}/${source} first LIMIT_COUNT 1)
  string(REGEX REPLACE "^# " "" label "${first}")
  string(APPEND navigation "<a href=\"${target}.html\">${label}</a>\n")
  string(REPLACE "href=\"${source}" "href=\"${target}.html" body "${body}")
endforeach()

file(WRITE ${TARGET} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">
<title>${title} - BACnet configuration console</title>
<link rel=\"stylesheet\" href=\"style.css\">
</head>
<body>
<nav>
${navigation}</nav>
<main>
${body}</main>
</body>
</html>
")

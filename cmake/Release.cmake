# The release's date, from the first entry of NEWS ("VERSION (YYYY-MM-DD)"):
# CALLOQUIN_RELEASE_DATE, and CALLOQUIN_RELEASE_EPOCH, its midnight UTC in
# seconds since 1970. Every date the build writes comes from these, never
# from the clock, so a release builds the same bytes whenever it is built.
file(STRINGS ${PROJECT_SOURCE_DIR}/NEWS news_release REGEX "^[0-9]+\\.[0-9]+\\.[0-9]+ \\(" LIMIT_COUNT 1)
if(NOT news_release MATCHES "^${PROJECT_VERSION} \\(([0-9][0-9][0-9][0-9])-([0-9][0-9])-([0-9][0-9])\\)$")
  message(FATAL_ERROR "NEWS: the first release named is not ${PROJECT_VERSION} (YYYY-MM-DD): ${news_release}")
endif()
set(CALLOQUIN_RELEASE_DATE "${CMAKE_MATCH_1}-${CMAKE_MATCH_2}-${CMAKE_MATCH_3}")
# Days since 1970-01-01 of a civil date (the proleptic Gregorian calendar).
math(EXPR y "${CMAKE_MATCH_1}")
math(EXPR m "${CMAKE_MATCH_2}")  # math() reads 08 and 09 as decimal
math(EXPR d "${CMAKE_MATCH_3}")
if(m LESS_EQUAL 2)
  math(EXPR y "${y} - 1")
  math(EXPR m "${m} + 9")
else()
  math(EXPR m "${m} - 3")
endif()
math(EXPR era "${y} / 400")
math(EXPR yoe "${y} - ${era} * 400")
math(EXPR doy "(153 * ${m} + 2) / 5 + ${d} - 1")
math(EXPR doe "${yoe} * 365 + ${yoe} / 4 - ${yoe} / 100 + ${doy}")
math(EXPR CALLOQUIN_RELEASE_EPOCH "(${era} * 146097 + ${doe} - 719468) * 86400")

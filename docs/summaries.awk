# A comment that begins with what is returned has a summary, too: "Returns ..." in the lists of members.
/^ *\/\/\/ @return / && previous !~ /^ *\/\/\// { sub(/@return/, "Returns") }
/\/\/\/< @return / { sub(/@return/, "Returns") }
{ previous = $0; print }

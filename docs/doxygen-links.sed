# For Doxygen, which makes pages of the Markdown files alone: links to a place on the same page and to files that are no
# pages (sources, samples, scripts) become their text.
s/\[([^][]*)\]\(#[^)]*\)/\1/g
s/\[([^][]*)\]\([^):#]*(\.(h|cpp|txt|ini|1)|\/[^).\/]*)\)/\1/g

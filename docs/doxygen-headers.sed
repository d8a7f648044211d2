# For Doxygen, which shows, and misses the text of, the free functions, types and constants of a header only where the
# header itself has a text. On the first line, so that warnings keep the numbers of the lines.
1s,^,/** \\brief A public header. \\file */ ,

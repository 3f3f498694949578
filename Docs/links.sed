# How Doxygen reads the pages: it knows no places within a page of another file.
s/\]\(([A-Za-z]+\.md)#[^)]*\)/](\1)/g

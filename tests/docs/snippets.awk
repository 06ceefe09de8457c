# Prints the C++ blocks of a Markdown page.
BEGIN { print "#pragma once" }
/^```cpp$/ { inside = 1; next }
/^```$/ { inside = 0 }
inside { print }

// For the samples: separates what one snippet writes from what the next does.
#ifndef FOUNDATION_JSON_SAMPLES_SNIPPET_HPP
#define FOUNDATION_JSON_SAMPLES_SNIPPET_HPP

#include <iostream>

inline void snippet(const char* name) {
    std::cout << '[' << name << "]\n";
}

#endif

// Counts the memory that a program obtains with new. For the streaming example.
#ifndef MEMORY_IN_USE_HPP
#define MEMORY_IN_USE_HPP

#include <cstddef>

// The most bytes in use at once while a function runs, beyond those in use before.
std::size_t peak_memory_of(void (*function)());

#endif

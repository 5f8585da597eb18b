// TAVRIN_CONSTANT_STRING declares a constant std::string that can be read at any time, also in constructors
// and destructors of static objects.
//
//     TAVRIN_CONSTANT_STRING text = "at most 15 characters";
//
// GCC computes the object at compile time, so that loading the library initialises nothing. Clang 14 cannot
// evaluate the strings of libstdc++ at compile time. It initialises them before all other objects and never
// destroys them.
#pragma once

#include <string>

#ifdef __clang__
#define TAVRIN_CONSTANT_STRING [[clang::no_destroy]] [[gnu::init_priority(101)]] const std::string
#else
#define TAVRIN_CONSTANT_STRING constexpr std::string
#endif

#pragma once

/// Makes the compiler believe that a value is used, without a copy of it.
template <class T>
inline void keepAlive(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

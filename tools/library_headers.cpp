// The code that library_headers.h is precompiled for.

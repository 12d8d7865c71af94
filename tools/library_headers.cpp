// Exists so that library_headers.h is precompiled.

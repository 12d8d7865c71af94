// Exists so that test_headers.h is precompiled.

// The code that test_headers.h is precompiled for.

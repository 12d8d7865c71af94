// The code that the header of the options is precompiled for.

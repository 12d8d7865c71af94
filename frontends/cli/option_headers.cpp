// Exists so that the header of CLI11 is precompiled.

// The shared library is made of the subsystem archives; this file only gives it a source.

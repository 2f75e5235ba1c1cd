// The precompiled headers of the tests need a source of their own.

// Nothing: a precompiled header needs a source that is compiled with it.

# The readers of Valgrind's and the sanitizers' suppression files, and the
# matcher behind them.
corr_add_fuzzer(native_suppressions SOURCES native_suppressions_fuzzer.cpp LIBS corr_engine)

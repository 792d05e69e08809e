// Heap allocations (operator new calls) of the benchmark binary so far, for the benchmarks that
// hold a per-frame path to none. The counting operator new is the unit tests' own
// (tests/unit/utils/AllocationCount.cpp), built into the benchmark binary as well.
#pragma once

long allocationCount();

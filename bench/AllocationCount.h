// Heap allocations (operator new calls) of the benchmark binary so far, for the benchmarks that
// hold a per-frame path to none.
#pragma once

long benchAllocationCount();

// A library of nothing, to be loaded beside ours.
extern "C" __attribute__((visibility("default"))) int pkider_bench_empty() {
    return 0;
}

/// The posture, compiled with leave to use fused multiply-add, in a namespace of its own.
#define noctara contracted
#include "monitor/posture.cpp"

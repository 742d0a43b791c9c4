// What any program with a thread weighs when it is linked statically.

#include <pthread.h>

namespace {

void* Run(void* nothing) { return nothing; }

} // namespace

int main() {
    pthread_t thread{};
    return pthread_create(&thread, nullptr, Run, nullptr);
}

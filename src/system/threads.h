// Threads of the process, as the system gives them. How work is shared among them: parallel.
#pragma once

#include <functional>
#include <thread>

namespace qob {

// How many threads of this process can work at the same time: at least 1.
int processors();

// A thread that carries out `work`. Throws std::system_error when the system gives no more.
std::thread start_thread(std::function<void()> work);

}  // namespace qob

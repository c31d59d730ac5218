#pragma once
// The rules of the two kinds of thread: handles belong to the application
// thread, borrowed views (PxUPtr) to the workers. A broken rule is an
// assertion with the text of the rule.
namespace Qv::PxThreadRules {

// Asserts "!PxRequestMgr::getInstance().isWorkerThreadCurrent()".
void assertNotOnWorker(char const* file, int line);
// The same rule where throwing is not possible (destructors): reported, not thrown.
void reportIfOnWorker(char const* file, int line) noexcept;
// Asserts "PxRequestMgr::getInstance().isWorkerThreadCurrent()".
void assertOnWorker(char const* file, int line);

} // namespace Qv::PxThreadRules

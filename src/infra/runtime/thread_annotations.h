// What clang's analysis of locks is told (-Wthread-safety); nothing for other compilers. docs/overview.md has
// the order of all locks, and each lock says at its declaration what comes before and after it.
#pragma once

#if defined(__clang__)
#define SMH_THREAD_ANNOTATION(annotation) __attribute__((annotation))
#else
#define SMH_THREAD_ANNOTATION(annotation)
#endif

// A class that is a lock, and one that holds a lock as long as it lives.
#define SMH_LOCKABLE SMH_THREAD_ANNOTATION(capability("lock"))
#define SMH_SCOPED_LOCK SMH_THREAD_ANNOTATION(scoped_lockable)

// A member that may be touched only by who holds the lock; for a pointer, what it points to.
#define SMH_GUARDED_BY(lock) SMH_THREAD_ANNOTATION(guarded_by(lock))
#define SMH_GUARDED_TARGET(lock) SMH_THREAD_ANNOTATION(pt_guarded_by(lock))
// A lock's place in the order; a member of another class goes by its address, &Class::lock.
#define SMH_TAKEN_BEFORE(...) SMH_THREAD_ANNOTATION(acquired_before(__VA_ARGS__))
#define SMH_TAKEN_AFTER(...) SMH_THREAD_ANNOTATION(acquired_after(__VA_ARGS__))

// What a function asks of its caller, and what it does to a lock.
#define SMH_NEEDS_LOCK(...) SMH_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define SMH_WITHOUT_LOCK(...) SMH_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define SMH_TAKES_LOCK(...) SMH_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define SMH_TRIES_LOCK(...) SMH_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define SMH_GIVES_LOCK(...) SMH_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define SMH_HOLDS_LOCK(...) SMH_THREAD_ANNOTATION(assert_capability(__VA_ARGS__))
// Which lock a function hands out.
#define SMH_ANSWERS_LOCK(lock) SMH_THREAD_ANNOTATION(lock_returned(lock))

// For the few functions whose locks the analysis cannot follow; each says why.
#define SMH_UNCHECKED_LOCKS SMH_THREAD_ANNOTATION(no_thread_safety_analysis)

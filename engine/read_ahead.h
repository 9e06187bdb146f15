// ReadAhead: the folders a scan will enter, read on worker threads ahead of the walk.
#pragma once

#include "engine/folder_read.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace quorrin::Engine {

// The read of one subfolder, queued by ReadAhead::queueSubfolders and handed out by take().
class ReadJob {
    friend class ReadAhead;
    enum class State { queued, reading, done };

    std::shared_ptr<const platform::Fd> parent;
    std::string name;
    State state = State::queued;
    FolderRead result;
};

// The walk visits folders depth-first in name order and does everything that decides what a scan
// reports: it only takes each folder's read from here. Workers read the queued folders, deepest
// first so that they stay just ahead of the walk, and queue the subfolders of each folder they
// read; the walk reads a folder itself when no worker has started it, and never waits on one that
// none will. The reads are the same whoever makes them, so a scan's files, notes and their order do
// not depend on the number of threads; only the order of the system calls does. Workers pause while
// the reads done and not yet taken hold many entries, so memory stays bounded when the walk falls
// behind.
class ReadAhead {
public:
    // `threads` workers; with none, the walk reads every folder itself as it comes to it.
    ReadAhead(unsigned threads, bool checkProjects, platform::Platform& platform);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // Queues the read of every subfolder of `folder` that the walk will enter (FolderRead's
    // `subfolders`); `folder` then lets go of its descriptor, which the reads keep until they have
    // opened their folders.
    void queueSubfolders(FolderRead& folder);
    // The read of a queued subfolder, with its own subfolders queued.
    FolderRead take(ReadJob& job);

private:
    void work();
    FolderRead read(ReadJob& job);

    const unsigned threads_;
    const bool checkProjects_;
    platform::Platform& platform_;
    std::mutex mutex_;
    std::condition_variable queued_;
    std::condition_variable done_;
    // Guarded by mutex_.
    std::vector<std::shared_ptr<ReadJob>> stack_;
    std::size_t entriesNotTaken_ = 0;
    bool stopping_ = false;
    // Set and filled by the walk's thread, before any worker runs.
    bool started_ = false;
    std::vector<std::thread> workers_;
};

// How many workers read ahead by default: the machine's hardware threads, at least two and at
// most eight (reads mostly wait on the kernel or the disk).
unsigned readAheadThreads();

}  // namespace quorrin::Engine

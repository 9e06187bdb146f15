// Worker threads that read the folders the walk will enter next, handed over in walk order.
#include "engine/read_ahead.h"

#include <algorithm>

namespace quorrin::Engine {
namespace {

// The entries of reads done and not yet taken at which the workers pause.
constexpr std::size_t maximumEntriesAhead = 1 << 16;

}  // namespace

ReadAhead::ReadAhead(unsigned threads, bool checkProjects, platform::Platform& platform)
    : threads_(threads), checkProjects_(checkProjects), platform_(platform) {}

ReadAhead::~ReadAhead() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    queued_.notify_all();
    for (std::thread& worker : workers_)
        worker.join();
}

void ReadAhead::queueSubfolders(FolderRead& folder) {
    folder.subfolders.resize(folder.names.size());
    std::vector<std::shared_ptr<ReadJob>> jobs;
    for (std::size_t child = 0; child < folder.names.size(); ++child) {
        if (!entersChild(folder, child))
            continue;
        auto job = std::make_shared<ReadJob>();
        job->parent = folder.directory;
        job->name = folder.names[child];
        folder.subfolders[child] = job;
        jobs.push_back(std::move(job));
    }
    folder.directory.reset();
    if (threads_ == 0 || jobs.empty())
        return;
    // The workers start with the first subfolder to read, so that a scan of folders without
    // subfolders starts none. Only the walk's thread can get here before they have started.
    if (!started_) {
        started_ = true;
        workers_.reserve(threads_);
        for (unsigned i = 0; i < threads_; ++i)
            workers_.emplace_back([this] { work(); });
    }
    {
        std::lock_guard lock(mutex_);
        // The first subfolder on top: the walk enters it first.
        stack_.insert(stack_.end(), jobs.rbegin(), jobs.rend());
    }
    queued_.notify_all();
}

FolderRead ReadAhead::take(ReadJob& job) {
    std::unique_lock lock(mutex_);
    if (job.state == ReadJob::State::queued) {
        job.state = ReadJob::State::reading;
        lock.unlock();
        return read(job);
    }
    done_.wait(lock, [&] { return job.state == ReadJob::State::done; });
    const bool paused = entriesNotTaken_ >= maximumEntriesAhead;
    entriesNotTaken_ -= job.result.names.size();
    lock.unlock();
    if (paused)
        queued_.notify_all();
    return std::move(job.result);
}

FolderRead ReadAhead::read(ReadJob& job) {
    FolderRead folder = readSubfolder(*job.parent, job.name, checkProjects_, platform_);
    job.parent.reset();
    if (folder.directory)
        queueSubfolders(folder);
    return folder;
}

void ReadAhead::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        queued_.wait(lock, [&] {
            return stopping_ || (!stack_.empty() && entriesNotTaken_ < maximumEntriesAhead);
        });
        if (stopping_)
            return;
        std::shared_ptr<ReadJob> job = std::move(stack_.back());
        stack_.pop_back();
        if (job->state != ReadJob::State::queued)
            continue;  // the walk took it first
        job->state = ReadJob::State::reading;
        lock.unlock();
        FolderRead folder = read(*job);
        lock.lock();
        entriesNotTaken_ += folder.names.size();
        job->result = std::move(folder);
        job->state = ReadJob::State::done;
        done_.notify_all();
    }
}

unsigned readAheadThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 2u, 8u);
}

}  // namespace quorrin::Engine

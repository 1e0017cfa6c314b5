#include "ui/pages/ui_page_task_runner.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <deque>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

namespace nal {

namespace {

// What the GUI thread and the pool threads share; every field under `mutex`.
struct shared_queue_t {
  std::mutex mutex;
  std::deque<std::pair<uint64, ui_page_task_runner_t::task_t>> waiting;
  std::vector<std::pair<uint64, ui_page_waveform_t>> finished;
  ui_page_task_runner_t* runner = nullptr;
};

shared_queue_t& shared_queue() {
  static shared_queue_t queue;
  return queue;
}

}  // namespace

ui_page_task_runner_t::ui_page_task_runner_t(QObject* parent) : QObject(parent) {}

ui_page_task_runner_t& ui_page_task_runner_t::instance() {
  shared_queue_t& queue = shared_queue();
  std::lock_guard<std::mutex> lock(queue.mutex);
  if (queue.runner == nullptr) {
    queue.runner = new ui_page_task_runner_t(QCoreApplication::instance());
  }
  return *queue.runner;
}

ui_page_task_runner_t::~ui_page_task_runner_t() {
  shared_queue_t& queue = shared_queue();
  std::lock_guard<std::mutex> lock(queue.mutex);
  queue.runner = nullptr;
  queue.waiting.clear();
  queue.finished.clear();
}

void ui_page_task_runner_t::start(QObject* receiver, task_t task, done_t done) {
  const uint64 id = _next_id++;
  _receivers[id] = receiver_t{receiver, std::move(done)};
  {
    shared_queue_t& queue = shared_queue();
    std::lock_guard<std::mutex> lock(queue.mutex);
    queue.waiting.emplace_back(id, std::move(task));
  }
  QThreadPool::globalInstance()->start([] { _run_next(); });
}

void ui_page_task_runner_t::_run_next() {
  shared_queue_t& queue = shared_queue();
  std::pair<uint64, task_t> job;
  {
    std::lock_guard<std::mutex> lock(queue.mutex);
    if (queue.waiting.empty()) {
      return;
    }
    job = std::move(queue.waiting.front());
    queue.waiting.pop_front();
  }
  ui_page_waveform_t result;
  try {
    result = job.second();
  } catch (const std::exception& error) {
    result = ui_page_waveform_t{};
    result.error = error.what();
  }
  // The snapshot ends here, on the pool thread, before the result is handed over.
  job.second = nullptr;
  std::lock_guard<std::mutex> lock(queue.mutex);
  if (queue.runner == nullptr) {
    return;
  }
  queue.finished.emplace_back(job.first, std::move(result));
  QMetaObject::invokeMethod(queue.runner, "_deliver", Qt::QueuedConnection);
}

void ui_page_task_runner_t::_deliver() {
  std::vector<std::pair<uint64, ui_page_waveform_t>> finished;
  {
    shared_queue_t& queue = shared_queue();
    std::lock_guard<std::mutex> lock(queue.mutex);
    finished.swap(queue.finished);
  }
  for (auto& [id, result] : finished) {
    const auto receiver = _receivers.find(id);
    if (receiver == _receivers.end()) {
      continue;
    }
    receiver_t target = std::move(receiver->second);
    _receivers.erase(receiver);
    if (target.object) {
      target.done(std::move(result));
    }
  }
}

}  // namespace nal

// SPDX-License-Identifier: MIT
// The Python module's native half: the C API with Python's types. It releases the interpreter's lock while it renders.
#include <glyphmotion/glyphmotion.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace {

using Options = std::vector<std::pair<std::string, std::string>>;
using Notes = std::vector<std::string>;

struct JobFree {
  void operator()(glyphmotion_job* job) const { glyphmotion_job_free(job); }
};
using JobPointer = std::unique_ptr<glyphmotion_job, JobFree>;

struct Frame {
  int width, height, number, duration;
  std::vector<unsigned char> rgba;
};

struct Exceptions {
  py::object error, option, cancelled;
};
Exceptions* exceptions = nullptr;  // made once, when the module is imported

[[noreturn]] void Throw(const py::object& type, const char* sentence) {
  PyErr_SetString(type.ptr(), sentence);
  throw py::error_already_set();
}

void Check(const glyphmotion_job* job, glyphmotion_status status) {
  switch (status) {
    case GLYPHMOTION_OK:
      return;
    case GLYPHMOTION_OUT_OF_MEMORY:
      throw std::bad_alloc();
    case GLYPHMOTION_BAD_OPTION:
      Throw(exceptions->option, glyphmotion_job_error(job));
    case GLYPHMOTION_CANCELLED:
      Throw(exceptions->cancelled, glyphmotion_job_error(job));
    default:
      Throw(exceptions->error, glyphmotion_job_error(job));
  }
}

// One rendering: its job, and what the callbacks need and leave behind.
class Run {
 public:
  Run(const Options& options, py::object progress) : progress_(std::move(progress)), job_(glyphmotion_job_new()) {
    if (!job_) throw std::bad_alloc();
    for (const auto& [name, value] : options) Check(Job(), glyphmotion_job_set(Job(), name.c_str(), value.c_str()));
    glyphmotion_job_on_progress(Job(), Progress, this);
  }

  glyphmotion_job* Job() const { return job_.get(); }

  /// Renders without the interpreter's lock. An exception of a callback goes on from here.
  template <typename Render>
  void Do(Render render) {
    glyphmotion_status status = GLYPHMOTION_OK;
    {
      const py::gil_scoped_release released;
      status = render();
    }
    if (raised_) std::rethrow_exception(std::exchange(raised_, nullptr));
    Check(Job(), status);
  }

  Notes TakeNotes() const {
    Notes notes;
    while (const char* note = glyphmotion_job_note(Job(), notes.size())) notes.emplace_back(note);
    return notes;
  }

 private:
  // Lets Ctrl+C through, and asks the caller's function, which cancels with a result of False.
  static int Progress(void* user, const char* stage, int64_t position, int64_t total) {
    Run& run = *static_cast<Run*>(user);
    const py::gil_scoped_acquire held;
    try {
      if (PyErr_CheckSignals() != 0) throw py::error_already_set();
      return !run.progress_.is_none() && run.progress_(stage, position, total).is(py::bool_(false));
    } catch (...) {
      run.raised_ = std::current_exception();
      return 1;
    }
  }

  py::object progress_;
  JobPointer job_;
  std::exception_ptr raised_;
};

std::pair<py::bytes, Notes> Render(const Options& options, const std::string& format, py::object progress) {
  Run run(options, std::move(progress));
  unsigned char* bytes = nullptr;
  std::size_t size = 0;
  run.Do([&] { return glyphmotion_render_to_memory(run.Job(), format.c_str(), &bytes, &size); });
  const std::unique_ptr<void, void (*)(void*)> owned(bytes, glyphmotion_free);
  return {py::bytes(reinterpret_cast<const char*>(bytes), size), run.TakeNotes()};
}

Notes Save(const Options& options, const std::string& path, py::object progress) {
  Run run(options, std::move(progress));
  run.Do([&] { return glyphmotion_render_to_file(run.Job(), path.c_str()); });
  return run.TakeNotes();
}

int KeepFrame(void* user, const glyphmotion_frame* frame) {
  try {
    const int width = glyphmotion_frame_width(frame), height = glyphmotion_frame_height(frame);
    const unsigned char* rgba = glyphmotion_frame_rgba(frame);
    const std::size_t size = std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    static_cast<std::vector<Frame>*>(user)->push_back(
        {width, height, glyphmotion_frame_number(frame), glyphmotion_frame_duration(frame), {rgba, rgba + size}});
    return 0;
  } catch (const std::bad_alloc&) {
    return 1;
  }
}

std::pair<std::vector<Frame>, Notes> Frames(const Options& options, py::object progress) {
  Run run(options, std::move(progress));
  std::vector<Frame> frames;
  run.Do([&] { return glyphmotion_render_frames(run.Job(), KeepFrame, &frames); });
  return {std::move(frames), run.TakeNotes()};
}

// Height x width x 4 bytes; NumPy and PIL take it as it is.
py::buffer_info BufferOf(Frame& frame) {
  const py::ssize_t width = frame.width, height = frame.height;
  return {frame.rgba.data(),
          1,
          py::format_descriptor<unsigned char>::format(),
          3,
          {height, width, py::ssize_t{4}},
          {width * 4, py::ssize_t{4}, py::ssize_t{1}}};
}

Notes Names(const char* const* names) {
  if (!names) throw std::bad_alloc();
  Notes list;
  for (; *names; ++names) list.emplace_back(*names);
  return list;
}

}  // namespace

PYBIND11_MODULE(_core, module) {
  const py::object base = py::reinterpret_borrow<py::object>(PyExc_RuntimeError);
  const auto exception = [&](const char* name, const py::object& bases) {
    const std::string qualified = std::string("glyphmotion.") + name;
    auto made = py::reinterpret_steal<py::object>(PyErr_NewException(qualified.c_str(), bases.ptr(), nullptr));
    module.add_object(name, made);
    return made;
  };
  const py::object error = exception("Error", base);
  const py::object value = py::reinterpret_borrow<py::object>(PyExc_ValueError);
  exceptions =
      new Exceptions{error, exception("OptionError", py::make_tuple(error, value)), exception("Cancelled", error)};

  py::class_<Frame>(module, "RawFrame", py::buffer_protocol())
      .def_readonly("width", &Frame::width)
      .def_readonly("height", &Frame::height)
      .def_readonly("number", &Frame::number)
      .def_readonly("duration", &Frame::duration)
      .def_buffer(BufferOf);
  module.def("render", Render);
  module.def("save", Save);
  module.def("frames", Frames);
  module.def("options", [] { return Names(glyphmotion_options()); });
  module.def("effects", [] { return Names(glyphmotion_effects()); });
  module.def("looks", [] { return Names(glyphmotion_looks()); });
  module.def("formats", [] { return Names(glyphmotion_formats()); });
  module.attr("version") = glyphmotion_version();
}

# Linux on 32-bit x86, compiled where the 64-bit one runs. Sums are those of SSE2, as everywhere: the older unit keeps
# more digits than a double has.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-m32 -march=pentium4 -mfpmath=sse")
endforeach()

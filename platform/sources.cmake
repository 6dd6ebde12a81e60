set(platform_sources file.cpp kodex.cpp)

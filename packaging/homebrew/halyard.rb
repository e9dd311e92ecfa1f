# A template: at a release, homepage and url name the place of the source archive, sha256 is that of the archive.
class Halyard < Formula
  desc "One menu for all that is otherwise typed by hand round Xcode"
  homepage "https://example.com/halyard"
  url "https://example.com/halyard/halyard-0.1.0.tar.gz"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"

  depends_on "cmake" => :build
  depends_on "ninja" => :build
  depends_on "nlohmann-json" => :build
  depends_on "fmt"
  depends_on "icu4c"
  depends_on :macos
  depends_on "simdjson"

  def install
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DBUILD_TESTING=OFF",
           "-DCMAKE_PREFIX_PATH=#{Formula["icu4c"].opt_prefix}", *std_cmake_args
    system "cmake", "--build", "build", "--target", "halyard"
    system "cmake", "--install", "build"
  end

  test do
    # Shows what it shows without Xcode, and ends with status 1 at Enter.
    assert_match "xcodebuild", pipe_output("#{bin}/halyard --mock-preflight", "\n", 1)
    assert_predicate man1/"halyard.1", :exist?
  end
end

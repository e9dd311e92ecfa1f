# Read by every bash of the demo (BASH_ENV). Bash looks a function up by the word as it was typed, slashes included: so a
# tool that is called by its path is the demo's as well.
for halyard_demo_path in \
  /usr/bin/codesign /usr/bin/defaults /usr/bin/hdiutil /usr/bin/lipo /usr/bin/open /usr/bin/osascript /usr/bin/plutil \
  /usr/bin/pbcopy /usr/bin/security /usr/bin/sw_vers /usr/bin/mdfind /usr/bin/swift /usr/bin/xcode-select \
  /usr/bin/xcodebuild /usr/bin/xcrun /usr/libexec/PlistBuddy /usr/bin/killall /usr/bin/stat /usr/bin/xargs /usr/bin/zip
do
  # Only what the demo has; for the rest the path means what it says.
  if [ -e "${HALYARD_DEMO_ROOT:?}/bin/${halyard_demo_path##*/}" ]; then
    eval "$halyard_demo_path() { command ${halyard_demo_path##*/} \"\$@\"; }"
  fi
done
unset halyard_demo_path

# The system's du, spelled as the vendor's ("  0B", " 12K"). It counts holes as well: the sample caches are nothing else.
du() {
  case ${1-} in
    -*h*) ;;
    *)
      command du "$@"
      return
      ;;
  esac
  if command du --apparent-size /dev/null >/dev/null 2>&1; then
    command du --apparent-size "$@" | sed -E 's/^([0-9]+)\t/\1B\t/; s/^(...)\t/ \1\t/; s/^(..)\t/  \1\t/'
    return "${PIPESTATUS[0]}"
  fi
  command du -A "$@"
}

"""Stand-ins for the vendor's tools. They keep state, so that what one of them does another one sees."""

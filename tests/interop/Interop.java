import com.sun.xml.fastinfoset.sax.SAXDocumentParser;
import com.sun.xml.fastinfoset.sax.SAXDocumentSerializer;
import java.io.BufferedOutputStream;
import java.io.File;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.InputStream;
import java.io.OutputStream;
import java.io.PrintWriter;
import java.util.ArrayList;
import java.util.List;
import java.util.TreeMap;
import javax.xml.parsers.SAXParserFactory;
import org.jvnet.fastinfoset.EncodingAlgorithmIndexes;
import org.jvnet.fastinfoset.sax.helpers.EncodingAlgorithmAttributesImpl;
import org.xml.sax.Attributes;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.AttributesImpl;
import org.xml.sax.helpers.DefaultHandler;

/**
 * Another reader and writer of Fast Infoset documents for the tests. Arguments come in pairs behind their commands:
 * "encode IN.xml OUT.fi", "list IN.fi OUT.txt" and "values - OUT.fi", as many as wanted.
 */
public final class Interop {
    private static final String NO_NAMESPACE = "";

    public static void main(String[] arguments) throws Exception {
        for (int n = 0; n + 2 < arguments.length; n += 3) {
            try {
                run(arguments[n], arguments[n + 1], arguments[n + 2]);
            } catch (Exception e) {
                // The comparison tells which document it was.
                try (PrintWriter writer = new PrintWriter(arguments[n + 2], "UTF-8")) {
                    writer.print(e);
                }
            }
        }
    }

    private static void run(String command, String in, String out) throws Exception {
        if (command.equals("encode")) {
            encode(in, out);
        } else if (command.equals("list")) {
            list(in, out);
        } else if (command.equals("values")) {
            writeValues(out);
        } else {
            throw new IllegalArgumentException(command);
        }
    }

    private static void encode(String in, String out) throws Exception {
        SAXParserFactory factory = SAXParserFactory.newInstance();
        factory.setNamespaceAware(true);
        XMLReader reader = factory.newSAXParser().getXMLReader();
        try (OutputStream stream = new BufferedOutputStream(new FileOutputStream(out))) {
            SAXDocumentSerializer serializer = new SAXDocumentSerializer();
            serializer.setOutputStream(stream);
            reader.setContentHandler(serializer);
            reader.setProperty("http://xml.org/sax/properties/lexical-handler", serializer);
            reader.parse(new File(in).toURI().toString());
        }
    }

    private static void list(String in, String out) throws Exception {
        Lister lister = new Lister();
        try (InputStream stream = new FileInputStream(in)) {
            SAXDocumentParser parser = new SAXDocumentParser();
            parser.setContentHandler(lister);
            parser.parse(stream);
        }
        try (PrintWriter writer = new PrintWriter(out, "US-ASCII")) {
            writer.print(lister.print());
        }
    }

    /** Every built-in encoding algorithm and both built-in alphabets, in attributes and in content. */
    private static void writeValues(String out) throws Exception {
        try (OutputStream stream = new BufferedOutputStream(new FileOutputStream(out))) {
            SAXDocumentSerializer s = new SAXDocumentSerializer();
            s.setOutputStream(stream);
            s.startDocument();
            EncodingAlgorithmAttributesImpl attributes = new EncodingAlgorithmAttributesImpl();
            addValue(attributes, "base64", EncodingAlgorithmIndexes.BASE64, new byte[] {0, 1, 2, (byte) 0xFF});
            addValue(attributes, "short", EncodingAlgorithmIndexes.SHORT, new short[] {-1, 2});
            addValue(attributes, "int", EncodingAlgorithmIndexes.INT, new int[] {-100000});
            addValue(attributes, "long", EncodingAlgorithmIndexes.LONG, new long[] {Long.MIN_VALUE});
            addValue(attributes, "boolean", EncodingAlgorithmIndexes.BOOLEAN, new boolean[] {true});
            addValue(attributes, "float", EncodingAlgorithmIndexes.FLOAT, new float[] {1.5f});
            addValue(attributes, "double", EncodingAlgorithmIndexes.DOUBLE, new double[] {-0.25});
            addValue(attributes, "uuid", EncodingAlgorithmIndexes.UUID, new long[] {0x0123456789ABCDEFL, 1L});
            s.startElement(NO_NAMESPACE, "values", "values", attributes);
            start(s, "bytes");
            s.bytes(new byte[] {1, 2, 3}, 0, 3);
            end(s, "bytes");
            start(s, "shorts");
            s.shorts(new short[] {1, -32768, 32767}, 0, 3);
            end(s, "shorts");
            start(s, "ints");
            s.ints(new int[] {1, Integer.MIN_VALUE, Integer.MAX_VALUE}, 0, 3);
            end(s, "ints");
            start(s, "longs");
            s.longs(new long[] {1, Long.MIN_VALUE, Long.MAX_VALUE}, 0, 3);
            end(s, "longs");
            start(s, "floats");
            s.floats(new float[] {1.5f, -2.25f}, 0, 2);
            end(s, "floats");
            start(s, "doubles");
            s.doubles(new double[] {1.5, -2.25}, 0, 2);
            end(s, "doubles");
            start(s, "booleans");
            s.booleans(new boolean[] {false}, 0, 1);
            end(s, "booleans");
            start(s, "numeric");
            s.numericCharacters("-1.5+3 7".toCharArray(), 0, 8);
            end(s, "numeric");
            start(s, "date");
            s.dateTimeCharacters("2024-05-06T07:08:09Z".toCharArray(), 0, 20);
            end(s, "date");
            s.endElement(NO_NAMESPACE, "values", "values");
            s.endDocument();
        }
    }

    private static void addValue(EncodingAlgorithmAttributesImpl attributes, String name, int algorithm, Object data) {
        attributes.addAttributeWithAlgorithmData(NO_NAMESPACE, name, name, null, algorithm, data);
    }

    private static void start(SAXDocumentSerializer s, String name) throws Exception {
        s.startElement(NO_NAMESPACE, name, name, new AttributesImpl());
    }

    private static void end(SAXDocumentSerializer s, String name) throws Exception {
        s.endElement(NO_NAMESPACE, name, name);
    }

    /** Lists a document in the form that the test's own listing has. */
    private static final class Lister extends DefaultHandler {
        private static final class Element {
            String head;
            boolean hasChildren;
            boolean isEnd;
            StringBuilder text = new StringBuilder();
        }

        private final List<Element> all = new ArrayList<>();
        private final List<Element> open = new ArrayList<>();

        @Override
        public void startElement(String uri, String localName, String qName, Attributes attributes) {
            TreeMap<String, String> sorted = new TreeMap<>();
            for (int n = 0; n < attributes.getLength(); ++n) {
                String name = attributes.getURI(n).isEmpty() ? "" : "{" + escape(attributes.getURI(n)) + "}";
                sorted.put(name + escape(attributes.getLocalName(n)), escape(attributes.getValue(n)));
            }
            StringBuilder head = new StringBuilder("<");
            head.append(uri.isEmpty() ? "" : "{" + escape(uri) + "}").append(escape(localName));
            sorted.forEach((name, value) -> head.append("\n @").append(name).append('=').append(value));
            Element element = new Element();
            element.head = head.toString();
            if (!open.isEmpty()) {
                open.get(open.size() - 1).hasChildren = true;
            }
            all.add(element);
            open.add(element);
        }

        @Override
        public void endElement(String uri, String localName, String qName) {
            open.remove(open.size() - 1);
            Element end = new Element();
            end.isEnd = true;
            all.add(end);
        }

        @Override
        public void characters(char[] characters, int start, int length) {
            open.get(open.size() - 1).text.append(characters, start, length);
        }

        String print() {
            StringBuilder out = new StringBuilder();
            for (Element element : all) {
                if (element.isEnd) {
                    out.append(">\n");
                    continue;
                }
                out.append(element.head).append('\n');
                String text = element.text.toString().replace("\r", "");
                if (!text.isEmpty() && !(element.hasChildren && isBlank(text))) {
                    out.append(" =").append(escape(text)).append('\n');
                }
            }
            return out.toString();
        }

        private static boolean isBlank(String text) {
            return text.chars().allMatch(c -> c == ' ' || c == '\t' || c == '\n');
        }

        private static String escape(String text) {
            StringBuilder out = new StringBuilder();
            for (int n = 0; n < text.length(); ++n) {
                char c = text.charAt(n);
                if (c >= 0x20 && c < 0x7F && c != '\\') {
                    out.append(c);
                } else {
                    out.append(String.format("\\%04X", (int) c));
                }
            }
            return out.toString();
        }
    }
}
